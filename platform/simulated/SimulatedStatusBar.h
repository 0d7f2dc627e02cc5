#pragma once

// The status item, its button, the popover and what goes with them, on the simulated desktop.

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "foundation/Observable.h"
#include "platform/EventMonitors.h"
#include "platform/Popover.h"
#include "platform/StatusItem.h"

namespace noctra {

struct SimulatedPicture : Picture {
    explicit SimulatedPicture(std::string what) : name(std::move(what)) {}
    std::string name; ///< what it was made from
};

class SimulatedImages : public Images {
public:
    bool drawsFiles = true;
    bool hasSymbols = true;
    std::vector<SymbolRequest> symbols; ///< asked for

    std::shared_ptr<const Picture> loadPdf(const std::string& path) override {
        return drawsFiles ? std::make_shared<SimulatedPicture>(path) : nullptr;
    }
    std::shared_ptr<const Picture> symbol(const SymbolRequest& request) override {
        symbols.push_back(request);
        return hasSymbols ? std::make_shared<SimulatedPicture>(request.name) : nullptr;
    }
    std::optional<std::string> png(const StatusImage& image) override {
        if (!image.picture)
            return std::nullopt;
        return "PNG of " + static_cast<const SimulatedPicture&>(*image.picture).name;
    }
};

/// A status bar like those whose items take clicks of both buttons themselves, or, with
/// `opensMenus`, like those that open the menu for a right click.
class SimulatedStatusBar : public StatusBar {
public:
    bool hasItems = true;
    bool hasButtons = true;
    bool opensMenus = false;
    bool keepsLeftClicks = false;                   ///< for the menu, as GNOME does
    std::optional<double> screenHeight = 900.0;     ///< of the button's screen, what can be seen
    std::optional<double> mainScreenHeight = 900.0; ///< the same of the main screen

    std::optional<StatusImage> image;
    int imagesSet = 0;
    std::optional<Menu> menu;
    std::vector<Menu> menusOpened;

    /// A click of the user's.
    void click(MouseEvent with) {
        event_ = with;
        if (menu && (!opensMenus || with == MouseEvent::rightMouseUp))
            menusOpened.push_back(*menu);
        else if (action_)
            action_();
        event_.reset();
    }
    void callActionWithoutEvent() const { action_(); }
    [[nodiscard]] std::string pictureName() const {
        return static_cast<const SimulatedPicture&>(*image->picture).name;
    }

    std::unique_ptr<StatusItem> makeItem() override {
        return hasItems ? std::make_unique<Item>(*this) : nullptr;
    }
    [[nodiscard]] std::optional<double> mainVisibleScreenHeight() const override {
        return mainScreenHeight;
    }

private:
    struct Button : StatusItemButton {
        explicit Button(SimulatedStatusBar& itsBar) : bar(itsBar) {}
        void setImage(const StatusImage& image) override {
            bar.image = image;
            ++bar.imagesSet;
        }
        [[nodiscard]] const StatusImage* image() const override {
            return bar.image ? &*bar.image : nullptr;
        }
        void setAction(std::function<void()> action) override { bar.action_ = std::move(action); }
        [[nodiscard]] std::optional<MouseEvent> currentEvent() const override { return bar.event_; }
        void performClick() override {
            if (bar.menu)
                bar.menusOpened.push_back(*bar.menu);
        }
        [[nodiscard]] std::optional<double> visibleScreenHeight() const override {
            return bar.screenHeight;
        }
        SimulatedStatusBar& bar;
    };
    struct Item : StatusItem {
        explicit Item(SimulatedStatusBar& itsBar) : bar(itsBar), itsButton(itsBar) {}
        StatusItemButton* button() override { return bar.hasButtons ? &itsButton : nullptr; }
        void setMenu(std::optional<Menu> menu) override {
            bar.menu = std::move(menu);
            if (bar.menu && !bar.keepsLeftClicks)
                std::erase_if(*bar.menu, [](const MenuItem& item) { return item.standsForClick; });
        }
        [[nodiscard]] bool desktopOpensMenu() const override { return bar.opensMenus; }
        SimulatedStatusBar& bar;
        Button itsButton;
    };

    std::function<void()> action_;
    std::optional<MouseEvent> event_;
};

class SimulatedPopover : public Popover {
public:
    double width = 0.0;
    double height = 0.0;
    bool shown = false;
    int showings = 0;
    std::function<void()> closeAsked;
    std::function<void()> placeChanged;
    bool works = true;

    void setContentSize(double newWidth, double newHeight) override {
        width = newWidth;
        height = newHeight;
    }
    [[nodiscard]] bool isShown() const override { return shown; }
    void show(const StatusItemButton&) override {
        shown = works;
        ++showings;
    }
    void performClose() override { shown = false; }
    void onPlaceChanged(std::function<void()> changed) override {
        placeChanged = std::move(changed);
    }
    void onCloseAsked(std::function<void()> asked) override { closeAsked = std::move(asked); }
};

class SimulatedEventMonitors : public EventMonitors {
public:
    bool works = true;

    /// The user presses a mouse button in another program; says how many monitors heard it.
    int pressElsewhere() {
        int heard = 0;
        monitors_.forEach([&](const auto& pressed) {
            ++heard;
            (*pressed)();
        });
        return heard;
    }

    AnyCancellable addGlobalMonitor(std::function<void()> pressed) override {
        return works ? AnyCancellable(monitors_.add(std::move(pressed))) : AnyCancellable();
    }

private:
    Listeners<std::function<void()>> monitors_;
};

} // namespace noctra
