/* What went wrong when a library was loaded, as a sentence. Part of loader.h. */
#ifndef VYRA_DETAIL_LOAD_REPORT_H
#define VYRA_DETAIL_LOAD_REPORT_H

#include <string.h>

/* Appends more to the text in a room of this size; what does not fit is left out. */
static __inline void vyra_append(char* text, size_t room, const char* more)
{
    const size_t length = strlen(text);
    const size_t fits = strlen(more) < room - length - 1 ? strlen(more) : room - length - 1;

    memcpy(text + length, more, fits);
    text[length + fits] = '\0';
}

static __inline void vyra_append_number(char* text, size_t room, unsigned long number)
{
    char digits[24];
    char* first = digits + sizeof digits - 1;

    *first = '\0';
    do {
        *--first = (char)('0' + number % 10);
        number /= 10;
    } while (number != 0);
    vyra_append(text, room, first);
}

static __inline void vyra_append_quoted(char* text, size_t room, const char* more)
{
    vyra_append(text, room, "\"");
    vyra_append(text, room, more);
    vyra_append(text, room, "\"");
}

/* Makes the message from the other fields; what stands in it already, the system's own words, comes last. */
static __inline void vyra_say(VyraLoadReport* report)
{
    char words[VYRA_LOAD_TEXT] = "";
    char* const text = report->message;
    const size_t room = sizeof report->message;

    vyra_append(words, sizeof words, text);
    *text = '\0';
    vyra_append_quoted(text, room, report->file);
    if (report->needed_by[0] != '\0') {
        vyra_append(text, room, ", which ");
        vyra_append_quoted(text, room, report->needed_by);
        vyra_append(text, room, " needs,");
    }
    switch (report->result) {
        case VYRA_LOAD_NO_FILE:
            vyra_append(text, room, " is missing");
            break;
        case VYRA_LOAD_NO_FUNCTION:
            vyra_append(text, room, " lacks ");
            vyra_append(text, room, report->function);
            vyra_append(text, room, ": it is of another version");
            break;
        case VYRA_LOAD_OTHER_PROCESSOR:
            vyra_append(text, room, " is made for another processor than this program");
            break;
        case VYRA_LOAD_DAMAGED:
            vyra_append(text, room, " is no library, or a damaged one");
            break;
        default:
            vyra_append(text, room, " is refused by the system");
            break;
    }
    if (report->searched[0] != '\0') {
        vyra_append(text, room, "; it was looked for in ");
        vyra_append(text, room, report->searched);
    }
    if (words[0] != '\0') {
        vyra_append(text, room, " (");
        vyra_append(text, room, words);
        vyra_append(text, room, ")");
    }
}

#endif
