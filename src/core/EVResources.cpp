#include "core/EVResources.h"

#include <QtGlobal>

// Q_INIT_RESOURCE must be used outside of any namespace.
static bool registerResources()
{
    Q_INIT_RESOURCE(resources);
    return true;
}

namespace EVResources {

void ensureLoaded()
{
    static const bool loaded = registerResources();
    Q_UNUSED(loaded);
}

} // namespace EVResources
