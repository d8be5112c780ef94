#pragma once

namespace LitharaTour {

class Stage;

/// The process lists that come with the program are loaded and run, each from nothing to a device.
void exampleDevices(Stage &stage);

} // namespace LitharaTour
