// The handshake by which a stop of video learns that an extraction thread has seen it.
#pragma once

#define BOOST_THREAD_PROVIDES_FUTURE
#include <boost/thread/future.hpp>

#include "locks/locks.h"

namespace kvs::brenvozulta {

class Video_data;

// One for each device. Its promise is that of the latest start.
class Stop_handshake {
public:
    // A promise that nobody has waited for. All the memory that it will ever need is had with it: one that goes without
    // an answer is fulfilled at its end, since to break it would take memory.
    class Promise {
    public:
        Promise() : future_(promise_.get_future()) {}
        Promise(Promise&& other) noexcept;
        Promise& operator=(Promise&& other) noexcept;
        ~Promise() { settle(); }

        // Throws the future library's promise-already-satisfied error the second time.
        void fulfil();

        // Its future, once. Throws the future library's error after that.
        boost::future<int> take_future();

    private:
        void settle() noexcept;

        boost::promise<int> promise_;
        boost::future<int> future_;
        bool settled_ = false;
    };

    // Begins video: the state becomes VIDEO_RUNNING, and the handshake starts over with a fresh promise. An extraction
    // thread sees both or neither.
    void begin(Video_data& video, Promise fresh);

    // Answers a stop that is requested: the state becomes VIDEO_STOPPED and the promise is fulfilled. False when no
    // stop is requested any more, or while another thread works on the handshake; nothing is changed then, above all
    // not for a start that came meanwhile. Throws the future library's promise-already-satisfied error when the promise
    // had been fulfilled before.
    bool answer(Video_data& video);

    // Fulfils the promise alone. Throws as answer does.
    void fulfil();

    // Waits, without a limit, until the promise is fulfilled; not once the process ends, when no thread is left to do
    // it. Throws the future library's error when that promise was waited for already or is broken.
    void wait();

private:
    // Guards the steps of the video state that go with the promise too. The promise's own lock is taken inside it;
    // nobody waits inside it.
    plain_mutex mutex_ ACQUIRED_AFTER(lock_order::inside_manager);
    Promise promise_ GUARDED_BY(mutex_);
};

}  // namespace kvs::brenvozulta
