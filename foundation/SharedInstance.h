#pragma once

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace noctra {

/// The program's one instance of a long-lived type: made on first use, once even if two threads
/// race, and never destroyed (no static destructor can run under another thread's feet).
///
/// The program says with `provide` how the instance is made, before anything asks for it; tests
/// build their own objects and never come here. Asking without a provider stops the process with a
/// message.
template <typename Type>
class SharedInstance {
public:
    static void provide(std::function<std::unique_ptr<Type>()> make) {
        provider() = std::move(make);
    }

    static Type& get() {
        static std::once_flag once;
        static Type* instance = nullptr;
        std::call_once(once, [] {
            if (!provider()) {
                std::fputs("noctra: programming error: a shared object was used before it was "
                           "provided\n",
                           stderr);
                std::abort();
            }
            instance = provider()().release();
        });
        return *instance;
    }

private:
    static std::function<std::unique_ptr<Type>()>& provider() {
        static auto* make = new std::function<std::unique_ptr<Type>()>;
        return *make;
    }
};

} // namespace noctra
