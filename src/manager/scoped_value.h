// What holds for as long as a call is under way.
#pragma once

namespace kvs::brenvozulta {

// Gives a variable a value and, at the end of the scope, the one that it had before.
template <class T>
class scoped_value {
public:
    scoped_value(T& variable, T value) : variable_(variable), before_(variable) { variable_ = value; }
    ~scoped_value() { variable_ = before_; }
    scoped_value(const scoped_value&) = delete;
    scoped_value& operator=(const scoped_value&) = delete;

private:
    T& variable_;
    const T before_;
};

}  // namespace kvs::brenvozulta
