#pragma once

#include "platform/NumberFormat.h"

namespace noctra {

/// The locale that the environment asks for. The C locale, which knows no grouping, is written as
/// English is.
class QtNumberFormat : public NumberFormat {
public:
    [[nodiscard]] std::optional<std::string> decimal(long long number) const override;
};

} // namespace noctra
