// spdlog: a line that is flushed to the disk, and one that is not written.
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "../figure.h"
#include "../log_text.h"
#include "../turn.h"

namespace {

std::shared_ptr<spdlog::logger> new_logger(const std::string& path)
{
    return std::make_shared<spdlog::logger>("bench", std::make_shared<spdlog::sinks::basic_file_sink_mt>(path, true));
}

// spdlog leaves the last step to the system; it is taken here, as the library takes it.
const Peer durable(
    figure_name::durable_line,
    {"spdlog", [] {
         const std::string path =
             (std::filesystem::temp_directory_path() / ("vyra_bench_spdlog." + std::to_string(getpid()))).string();
         const auto logger = new_logger(path);
         const int file = open(path.c_str(), O_RDWR);
         const double each = microseconds_each([&] {
             logger->error(log_text);
             logger->flush();
             fsync(file);
         });
         close(file);
         unlink(path.c_str());
         return each;
     }});

const Peer disabled(figure_name::disabled_line, {"spdlog", [] {
                                                     const auto logger = new_logger("/dev/null");
                                                     logger->set_level(spdlog::level::off);
                                                     int status = 9000;
                                                     return nanoseconds_each([&] {
                                                         keep(status);
                                                         logger->error("bench:    Error={}: {}", status, "");
                                                     });
                                                 }});

}  // namespace
