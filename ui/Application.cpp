// The process-wide values of the program.
#include "ui/Application.h"

namespace velmora {

Application& App() {
    static Application application;
    return application;
}

}  // namespace velmora
