/*
 * Reads from the bytes of a PE file (an EXE or a DLL as it lies on the disk) for which processor it is made, which
 * files and functions it imports and which functions it exports. Part of loader.h, and of no system.
 *
 * The bytes may be anything: whatever they point to is looked for within them, and what is not there reads as absent.
 */
#ifndef VYRA_DETAIL_PE_FILE_H
#define VYRA_DETAIL_PE_FILE_H

#include <stddef.h>
#include <string.h>

#define VYRA_PE_X64 0x8664u

typedef struct VyraPe {
    const unsigned char* bytes;
    size_t size;
    unsigned long machine;
    unsigned long section_count;
    size_t sections;       /* where the table of sections begins */
    int wide;              /* a 64-bit file */
    unsigned long exports; /* addresses of the two tables, 0 for none */
    unsigned long imports;
} VyraPe;

/* A number of 1 to 4 bytes; 0 where there are none. */
static __inline unsigned long vyra_pe_number(const VyraPe* pe, size_t offset, unsigned bytes)
{
    unsigned long value = 0;

    if (offset <= pe->size && pe->size - offset >= bytes) {
        while (bytes > 0) {
            value = value << 8 | pe->bytes[offset + --bytes];
        }
    }
    return value;
}

/* How many bytes of the file stand at an address, and where; 0 for none. */
static __inline size_t vyra_pe_locate(const VyraPe* pe, unsigned long address, size_t* offset)
{
    unsigned long i;

    for (i = 0; i < pe->section_count; ++i) {
        const size_t section = pe->sections + 40 * (size_t)i;
        const unsigned long begin = vyra_pe_number(pe, section + 12, 4);
        const unsigned long length = vyra_pe_number(pe, section + 16, 4);
        const unsigned long place = vyra_pe_number(pe, section + 20, 4);
        if (address >= begin && address - begin < length && place < pe->size) {
            const size_t inside = address - begin;
            const size_t there = length < pe->size - place ? length : pe->size - place;
            *offset = place + inside;
            return inside < there ? there - inside : 0;
        }
    }
    return 0;
}

static __inline unsigned long vyra_pe_number_at(const VyraPe* pe, unsigned long address, unsigned bytes)
{
    size_t offset = 0;

    return vyra_pe_locate(pe, address, &offset) >= bytes ? vyra_pe_number(pe, offset, bytes) : 0;
}

/* A text with its terminator; null where there is none. */
static __inline const char* vyra_pe_text_at(const VyraPe* pe, unsigned long address)
{
    size_t offset = 0;
    const size_t room = address == 0 ? 0 : vyra_pe_locate(pe, address, &offset);

    return room > 0 && memchr(pe->bytes + offset, '\0', room) != NULL ? (const char*)pe->bytes + offset : NULL;
}

/* Returns 0 when the bytes are no PE file. They must stay where they are for as long as the file is read. */
static __inline int vyra_pe_read(VyraPe* pe, const unsigned char* bytes, size_t size)
{
    size_t header;
    size_t directories;

    memset(pe, 0, sizeof *pe);
    pe->bytes = bytes;
    pe->size = size;
    header = vyra_pe_number(pe, 0x3C, 4);
    if (vyra_pe_number(pe, 0, 2) != 0x5A4D || header > size || vyra_pe_number(pe, header, 4) != 0x4550) {
        return 0;
    }
    pe->machine = vyra_pe_number(pe, header + 4, 2);
    pe->section_count = vyra_pe_number(pe, header + 6, 2);
    pe->sections = header + 24 + vyra_pe_number(pe, header + 20, 2);
    pe->wide = vyra_pe_number(pe, header + 24, 2) == 0x20B;
    directories = header + 24 + (pe->wide ? 112 : 96);
    if (directories + 16 <= pe->sections) {
        pe->exports = vyra_pe_number(pe, directories, 4);
        pe->imports = vyra_pe_number(pe, directories + 8, 4);
    }
    return pe->machine != 0;
}

/* The name of the file that is imported at this place, from 0 on; null behind the last one. */
static __inline const char* vyra_pe_import(const VyraPe* pe, unsigned long index)
{
    return pe->imports == 0 ? NULL : vyra_pe_text_at(pe, vyra_pe_number_at(pe, pe->imports + 20 * index + 12, 4));
}

/* The name of the function that is imported at this place from that file; empty for one that is imported by its number,
 * null behind the last one. */
static __inline const char* vyra_pe_import_function(const VyraPe* pe, unsigned long file, unsigned long index)
{
    const unsigned long entry = pe->imports + 20 * file;
    const unsigned long list = vyra_pe_number_at(pe, entry, 4);
    const unsigned long table = list != 0 ? list : vyra_pe_number_at(pe, entry + 16, 4);
    const unsigned long slot = table + (pe->wide ? 8 : 4) * index;
    const unsigned long low = vyra_pe_number_at(pe, slot, 4);

    if (((pe->wide ? vyra_pe_number_at(pe, slot + 4, 4) : low) & 0x80000000ul) != 0) {
        return "";
    }
    return low == 0 ? NULL : vyra_pe_text_at(pe, low + 2);
}

static __inline int vyra_pe_exports(const VyraPe* pe, const char* name)
{
    const unsigned long count = vyra_pe_number_at(pe, pe->exports + 24, 4);
    const unsigned long names = vyra_pe_number_at(pe, pe->exports + 32, 4);
    unsigned long i;

    for (i = 0; pe->exports != 0 && i < count && i <= pe->size / 4; ++i) {
        const char* const each = vyra_pe_text_at(pe, vyra_pe_number_at(pe, names + 4 * i, 4));
        if (each != NULL && strcmp(each, name) == 0) {
            return 1;
        }
    }
    return 0;
}

#endif
