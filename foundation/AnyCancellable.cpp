#include "foundation/AnyCancellable.h"

namespace noctra {

namespace {

struct CallOnDrop {
    explicit CallOnDrop(std::function<void()> onCancel) : call(std::move(onCancel)) {}
    CallOnDrop(const CallOnDrop&) = delete;
    CallOnDrop& operator=(const CallOnDrop&) = delete;
    ~CallOnDrop() {
        if (call)
            call();
    }

    std::function<void()> call;
};

} // namespace

AnyCancellable AnyCancellable::calling(std::function<void()> onCancel) {
    return AnyCancellable(std::make_shared<CallOnDrop>(std::move(onCancel)));
}

} // namespace noctra
