// The library as C++17 objects, header only: what is initialized, opened, started or subscribed ends with its object.
//
//     std::vector<std::uint8_t> memory(4 * vyra::size_of(vyra::mode::flat).bytes());
//     vyra::library library;
//     vyra::scanner scanner(library, library.scanners().at(0));
//     vyra::video video(scanner, vyra::mode::flat);
//     video.submit_all(memory.data(), memory.size());
//     while (const auto image = video.wait(std::chrono::seconds(5))) {
//         show(image->pixels, image->size.width, image->size.height);
//         video.submit(*image);
//     }
//
// Conventions
// - Objects end in the reverse order of their making, as those of one scope do: video, scanner, library. None is to be
//   static: they wait for the library when they end.
// - The host owns the buffers. The library has one from submit until wait returns its image or the video has ended.
// - Failures of the library are exceptions, vyra::error with the status as its code. Misuse is a std::logic_error.
// - Opening, closing and each video are for one thread at a time. A stop_signal may be given from anywhere.
// - Subscribers run on the library's threads. They may call the library and end their own subscription, must not throw
//   (that ends the program), must not wait for a thread that calls the library, and must not make or end other objects
//   of this header: tell a thread of your own.
// - Each object ends where it was made; none is copied or moved. Put it into a std::optional or std::unique_ptr to end
//   it earlier.
// - What has no member here is called through functions(), with the scanner's handle(): other names of the same
//   functions, those that do nothing, and the notification service of a host without scanners.
//
// A host that links the import library says vyra::library library; one that loads the library at run time (loader.h)
// gives what VyraLoad has filled: vyra::library library(functions).
#ifndef VYRA_HPP
#define VYRA_HPP

#include "detail/basics.hpp"
#include "detail/change_watch.hpp"
#include "detail/library.hpp"
#include "detail/scanner.hpp"
#include "detail/subscriptions.hpp"
#include "detail/video.hpp"

#endif
