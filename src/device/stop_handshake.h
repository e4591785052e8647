// The handshake by which a stop of video learns that an extraction thread has seen it.
#pragma once

#include <boost/thread/mutex.hpp>
#define BOOST_THREAD_PROVIDES_FUTURE
#include <boost/thread/future.hpp>

namespace kvs::brenvozulta {

// Owned by the device alone: an extraction thread whose handshake is gone knows that its device is.
class Stop_handshake {
public:
    // Starts over with a fresh promise, for a fresh start of video.
    void renew();

    // Waits, without a limit, for the promise of the latest start. Throws the future library's error when that promise
    // was waited for already or is broken.
    void wait();

    // Fulfils the promise of the latest start. Throws the future library's promise-already-satisfied error when another
    // extraction thread was quicker.
    void fulfil();

private:
    // Guards promise_: a start may renew it while the extraction thread of an earlier one fulfils it. The promise's own
    // lock is taken inside it; nobody waits inside it.
    boost::mutex mutex_;
    boost::promise<int> promise_;
};

}  // namespace kvs::brenvozulta
