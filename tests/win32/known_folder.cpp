// The application-data folder.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <stdexcept>

#include "entry_point.h"
#include "shlobj.h"
#include "test_bench/unseen.h"
#include "win32_double/control.h"

const KNOWNFOLDERID FOLDERID_ProgramData = {
    0x62AB5D82, 0xFDC1, 0x4DC3, {0xA9, 0xDD, 0x07, 0x0D, 0x1D, 0x49, 0x5D, 0x97}};

namespace win32_double {
namespace {

Entry_point known_folder_call{"SHGetKnownFolderPath"};
Entry_point free_call{"CoTaskMemFree"};

struct Program_data {
    std::mutex lock;  // guards path; a leaf but for the file system
    std::string path;
};

Program_data& state()
{
    static auto& only = *new Program_data;
    return only;
}

struct Temporary_directory {
    std::filesystem::path path;
    pid_t owner = 0;  // a forked child must not remove what its parent still uses
};

Temporary_directory& temporary()
{
    static auto& only = *new Temporary_directory;
    return only;
}

// The folder lies one level down, so that names that continue the folder's own with a backslash are removed as well.
std::string temporary_folder()
{
    if (!temporary().path.empty()) {
        return temporary().path / "ProgramData";
    }
    std::string root = (std::filesystem::temp_directory_path() / "win32_double.XXXXXX").string();
    if (mkdtemp(root.data()) == nullptr) {
        throw std::runtime_error("no temporary directory can be made");
    }
    temporary() = {root, getpid()};
    std::atexit([] {
        std::error_code ignored;
        if (temporary().owner == getpid()) {
            std::filesystem::remove_all(temporary().path, ignored);
        }
    });
    std::filesystem::create_directory(root + "/ProgramData");
    return root + "/ProgramData";
}

}  // namespace

void set_program_data(const std::string& path)
{
    const test_bench::Unseen_lock guard(state().lock);
    state().path = path;
}

std::string program_data()
{
    const test_bench::Unseen_lock guard(state().lock);
    if (state().path.empty()) {
        const char* const configured = std::getenv("WIN32_DOUBLE_PROGRAMDATA");
        state().path = configured != nullptr && *configured != '\0' ? configured : temporary_folder();
    }
    return state().path;
}

}  // namespace win32_double

// Each byte of the folder's name becomes the character of that value, which wcstombs_s turns back into the same byte.
HRESULT SHGetKnownFolderPath(REFKNOWNFOLDERID folder, DWORD /*flags*/, HANDLE /*token*/, PWSTR* path)
{
    *path = nullptr;
    if (const auto error = win32_double::known_folder_call.enter()) {
        return static_cast<HRESULT>(*error);
    }
    if (folder != FOLDERID_ProgramData) {
        return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    }
    const std::string name = win32_double::program_data();
    auto* const text = static_cast<PWSTR>(std::malloc((name.size() + 1) * sizeof(WCHAR)));
    if (text == nullptr) {
        return E_OUTOFMEMORY;
    }
    for (size_t i = 0; i <= name.size(); ++i) {
        text[i] = static_cast<unsigned char>(name.c_str()[i]);
    }
    *path = text;
    return S_OK;
}

// There is no way for it to fail; only its calls are counted.
void CoTaskMemFree(LPVOID block)
{
    win32_double::free_call.enter();
    std::free(block);
}
