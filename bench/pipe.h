// Ways of handing images from a driver's thread to a host's, and what is measured of them.
#pragma once

#include <functional>
#include <memory>

#include "figure.h"

// The host's buffers are all outstanding at first.
class Pipe {
public:
    virtual ~Pipe() = default;

    // The driver's thread: copies the driver's image into the oldest outstanding buffer; waits while none is.
    virtual void deliver() = 0;

    // The host's thread: whether an image was there. Its buffer is handed back at once.
    virtual bool fetch() = 0;

    // Releases a deliver that waits.
    virtual void end() = 0;
};

using Pipe_maker = std::function<std::unique_ptr<Pipe>()>;

// Of the library: the queue and the callback alone; all of it, with the extraction thread of a video that runs.
std::unique_ptr<Pipe> make_queue_pipe();
std::unique_ptr<Pipe> make_library_pipe();

// Microseconds for each image that a driver without pause hands to a host that polls each 50 us.
Side hand_over_side(const char* name, Pipe_maker make);

// Microseconds from the driver's begin of an image, one each 2 ms, to the host's having it, without what the bare copy
// takes. A turn of the median keeps its images for a turn of the 99th percentile, so that they are waited for once.
struct Latency_sides {
    Side median;
    Side p99;
};
Latency_sides latency_sides(const char* name, const Pipe_maker& make, bool paced);

// A peer's sides of the figures without the extraction thread, and of those with it.
class Pipe_peer {
public:
    Pipe_peer(const char* name, const Pipe_maker& make);
};
class Extraction_peer {
public:
    Extraction_peer(const char* name, const Pipe_maker& make);
};
