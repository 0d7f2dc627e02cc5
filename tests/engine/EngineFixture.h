#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/ColorFilterManager.h"
#include "engine/GammaRamp.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace noctra {

/// A simulated desktop with two displays, and an engine to be started on it.
struct EngineFixture : testing::Test {
    using Call = SimulatedDisplays::Call;

    SimulatedDesktop desktop;
    std::unique_ptr<ColorFilterManager> engine;

    EngineFixture() {
        desktop.displays.attach(1, calibratedTables(0.9F));
        desktop.displays.attach(2, calibratedTables(0.8F));
    }

    void start() {
        engine = std::make_unique<ColorFilterManager>(EngineServices{
            .log = desktop.log,
            .mainQueue = desktop.mainQueue,
            .displays = desktop.displays,
            .preferences = desktop.preferences,
            .process = desktop.process,
            .displayChanges = &desktop.displayChanges,
            .loginItem = &desktop.loginItem,
            .backlight = &desktop.backlight,
            .onlineDisplays = &desktop.online,
            .brightnessGetter =
                [this] {
                    return reinterpret_cast<display_services::GetBrightness*>(
                        desktop.displayServices.symbol(nullptr,
                                                       display_services::getBrightnessSymbol));
                },
        });
    }

    /// Starts the engine and forgets what that left in the records.
    void startQuietly() {
        start();
        desktop.advance(Seconds(1));
        desktop.displays.forgetCalls();
        desktop.preferences.forgetWrites();
        desktop.log.messages.clear();
    }

    /// Tables that are not linear and differ by channel.
    static GammaTables calibratedTables(float top) {
        GammaTables tables = SimulatedDisplays::linearTables();
        for (std::size_t k = 0; k < gammaTableSize; ++k) {
            tables.red[k] *= top;
            tables.green[k] *= tables.green[k];
            tables.blue[k] = tables.blue[k] * 0.5F + 0.1F;
        }
        return tables;
    }

    static GammaTables filtered(const GammaTables& captured, double intensity, double brightness) {
        GammaTables output;
        scaleGammaTables(captured, ColorTemperatureCurve::normalizedRGB(intensity), brightness,
                         output);
        return output;
    }

    [[nodiscard]] std::size_t writes() const { return desktop.displays.count(Call::Kind::write); }
};

} // namespace noctra
