#pragma once
// Writes the score window's workbooks: the Workbook stream in a compound document file, through libgsf.

#include "scores/hit_scores.h"

namespace halvane {

class GsfWorkbookWriter : public WorkbookWriter {
  public:
    // The file appears whole or not at all: libgsf writes beside it and renames over it on close.
    std::string write(const std::string& path, const std::vector<std::vector<std::string>>& rows) override;
};

}  // namespace halvane
