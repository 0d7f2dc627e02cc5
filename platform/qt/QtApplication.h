#pragma once

#include <QtCore/QObject>

#include "platform/Application.h"

namespace noctra {

/// The QCoreApplication that the program runs in; it has to exist already.
class QtApplication : public QObject, public Application {
public:
    QtApplication();

    void becomeAgent() override;
    void terminate(int status) override;
    void onWillTerminate(std::function<void()> handler) override;
};

} // namespace noctra
