#pragma once

// The application's own resources (artwork, string tables) live in the static library, which
// registers them only when asked.
namespace EVResources {

// Registers the compiled-in resources once per process; later calls do nothing.
void ensureLoaded();

} // namespace EVResources
