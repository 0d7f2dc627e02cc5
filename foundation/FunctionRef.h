#pragma once

#include <type_traits>
#include <utility>

namespace noctra {

template <typename Signature>
class FunctionRef;

/// A borrowed callable: two pointers, no allocation, no ownership.
///
/// Use it for a parameter that is called before the function returns. The callable must outlive the
/// call; never store a FunctionRef.
template <typename Result, typename... Arguments>
class FunctionRef<Result(Arguments...)> {
public:
    template <typename Callable>
    requires(!std::is_same_v<std::remove_cvref_t<Callable>, FunctionRef> &&
             std::is_invocable_r_v<Result, Callable&, Arguments...>)
        // NOLINTNEXTLINE(google-explicit-constructor,bugprone-forwarding-reference-overload)
        FunctionRef(Callable&& callable)
        : object_(const_cast<void*>(static_cast<const void*>(&callable))),
          call_([](void* object, Arguments... arguments) -> Result {
              return (*static_cast<std::remove_reference_t<Callable>*>(object))(
                  std::forward<Arguments>(arguments)...);
          }) {}

    Result operator()(Arguments... arguments) const {
        return call_(object_, std::forward<Arguments>(arguments)...);
    }

private:
    void* object_;
    Result (*call_)(void*, Arguments...);
};

} // namespace noctra
