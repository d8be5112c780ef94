#pragma once

#include "UI/BatchRun/ProcessData.h"

#include <vector>

/// The steps of an example, and the file that holds them.
struct ExampleList
{
    const char *fileName;
    std::vector<Ui::ProcessData> steps;
};

/// All process lists of this folder. The masks stand in the lists as they are drawn here, a pixel
/// for each column of cells.
std::vector<ExampleList> exampleLists();
