#pragma once

#include <QtCore/QObject>

#include "platform/Application.h"

namespace noctra {

/// The QGuiApplication that the program runs in; it has to exist already.
class QtApplication : public QObject, public Application {
public:
    QtApplication();

    void becomeAgent() override;
    void activate() override;
    void terminate(int status) override;
    void onWillTerminate(std::function<void()> handler) override;
};

} // namespace noctra
