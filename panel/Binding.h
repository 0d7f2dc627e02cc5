#pragma once

#include <functional>
#include <utility>

#include "foundation/Observable.h"

namespace noctra {

/// A two-way link to a value that somebody else keeps. Both functions are set.
template <typename Value>
struct Binding {
    std::function<Value()> get;
    std::function<void(Value)> set;
};

/// A binding to `property`, which must outlive it.
template <typename Value>
[[nodiscard]] Binding<Value> bindingTo(Published<Value>& property) {
    return {[&property] { return property.get(); },
            [&property](Value value) {
                property = std::move(value);
            }};
}

} // namespace noctra
