// What lives until the process ends.
#pragma once

namespace kvs::brenvozulta {

// The one object of its type, made on first use and never destroyed. Nothing of the library runs when it is unloaded or
// the process ends: a host's thread, the driver's or one that is on its way out may be in it then, and a lock or a
// thread that is destroyed under its users ends the process badly.
template <class T>
T& never_destroyed()
{
    static auto* const object = new T;
    return *object;
}

}  // namespace kvs::brenvozulta
