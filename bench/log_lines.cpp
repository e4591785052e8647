// A line of the log, written and not written.
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "figure.h"
#include "log/log.h"
#include "log/log_file.h"
#include "log/log_line.h"
#include "log_text.h"
#include "turn.h"
#include "vyra/status.h"

namespace {

double durable_line()
{
    return microseconds_each([] {
        if (kvs::brenvozulta::log_write(log_text) != 0) {
            throw std::runtime_error("the log cannot be written");
        }
    });
}

// A file beside the log.
class Plain_file {
public:
    Plain_file()
        : path_(kvs::brenvozulta::log_directory() + "bench.txt"),
          descriptor_(_sopen(path_.c_str(), _O_CREAT | _O_RDWR | _O_APPEND, _SH_DENYNO, _S_IREAD | _S_IWRITE))
    {
        if (descriptor_ == -1) {
            throw std::runtime_error("cannot open " + path_);
        }
    }
    ~Plain_file()
    {
        _close(descriptor_);
        DeleteFileA(path_.c_str());
    }
    Plain_file(const Plain_file&) = delete;
    Plain_file& operator=(const Plain_file&) = delete;

    void write(const std::string& text)
    {
        check(_write(descriptor_, text.data(), static_cast<unsigned>(text.size())) >= 0);
    }
    void flush() { check(_commit(descriptor_) == 0); }

private:
    void check(bool done) const
    {
        if (!done) {
            throw std::runtime_error("cannot write " + path_);
        }
    }

    const std::string path_;
    const int descriptor_;
};

// The line in one piece.
const Side one_flush = {"one flush", [] {
                            Plain_file file;
                            const std::string line = std::string(48, ' ') + log_text;
                            return microseconds_each([&] {
                                file.write(line);
                                file.flush();
                            });
                        }};

// The line as the log's readers have always had it: its time, a space, its thread and its text.
const Side pieces_and_flush = {
    "four pieces and a flush", [] {
        Plain_file file;
        const std::string pieces[] = {std::string(23, ' '), " ", std::string(24, ' '), log_text};
        return microseconds_each([&] {
            for (const std::string& piece : pieces) {
                file.write(piece);
            }
            file.flush();
        });
    }};

double disabled_line()
{
    std::int32_t status = VYRA_INTERNAL;
    return nanoseconds_each([&] {
        keep(status);
        kvs::brenvozulta::log_printf(kvs::brenvozulta::log_errors, "bench:    Error=%d: %s\r\n", status, "");
    });
}

}  // namespace

std::vector<Figure> log_figures()
{
    return {{figure_name::durable_line, "us", 1.1, {"", durable_line}, one_flush.name, {one_flush, pieces_and_flush}},
            {figure_name::disabled_line, "ns", 0.3, {"", disabled_line}, "spdlog", {}}};
}
