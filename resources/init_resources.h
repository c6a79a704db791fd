#pragma once

/**
 * Makes the compiled-in resources (":/qss", ":/img", ":/qm") known to Qt. To be called once before the first
 * of them is opened: they lie in a static library, which a linker would otherwise leave out.
 */
void init_resources();
