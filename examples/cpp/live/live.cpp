// A live loop with the C++ objects: shows the mean grey of each image until so many have come or Ctrl-C.
//
//     live [IMAGES]
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <numeric>
#include <vector>

#include <vyra/vyra.hpp>

namespace {

vyra::stop_signal stop;

void interrupt(int)
{
    stop.request();
}

void show(const vyra::image& image)
{
    const double sum = std::accumulate(image.pixels, image.pixels + image.size.bytes(), 0.0);
    std::cout << image.size.width << " x " << image.size.height << " in buffer " << image.context << ", mean "
              << sum / static_cast<double>(image.size.bytes()) << '\n';
}

// Everything that is begun here has ended when this returns, whichever way.
void run(long wanted)
{
    std::vector<std::uint8_t> memory(4 * vyra::size_of(vyra::mode::flat).bytes());
    vyra::library library;
    vyra::scanner scanner(library, library.scanners().at(0));
    vyra::video video(scanner, vyra::mode::flat);
    video.submit_all(memory.data(), memory.size());
    while (wanted-- > 0) {
        const auto image = video.wait(std::chrono::seconds(5), stop);
        if (!image) {
            std::cout << (stop.requested() ? "stopped\n" : "no image for five seconds\n");
            return;
        }
        show(*image);
        video.submit(*image);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    std::signal(SIGINT, interrupt);
    try {
        run(argc > 1 ? std::atol(argv[1]) : 100);
        return EXIT_SUCCESS;
    } catch (const vyra::unplugged&) {
        std::cerr << "the scanner was unplugged\n";
    } catch (const std::out_of_range&) {
        std::cerr << "no scanner is attached\n";
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
    }
    return EXIT_FAILURE;
}
