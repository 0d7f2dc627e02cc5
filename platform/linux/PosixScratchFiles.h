#pragma once

#include "platform/ScratchFiles.h"

namespace noctra {

/// ScratchFiles on a POSIX file system; files are made with mode 0600.
class PosixScratchFiles : public ScratchFiles {
public:
    std::string create(const std::string& path, std::string_view contents) override;
    std::string append(const std::string& path, std::string_view contents) override;
};

} // namespace noctra
