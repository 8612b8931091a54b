// A library that is no engine: it exports a function, but not "LoadEngine". Tests load it to
// see the host refuse it.
#include "engine/PluginInterface.h"

VELMORA_PLUGIN_EXPORT int NotAnEngine() {
    return 0;
}
