#include "Selvane/UI/Popover/ViewTypes.h"

// Written by the build. The types lie in static libraries, where nothing else asks for these functions.
extern void qml_register_types_Selvane_Controls();
extern void qml_register_types_Selvane_Popover();
extern void qml_register_types_Selvane_Progress();
extern void qml_register_types_Selvane_Tasks();
extern void qml_register_types_Selvane_Timer();

namespace selvane {

void registerViewTypes() {
    qml_register_types_Selvane_Controls();
    qml_register_types_Selvane_Timer();
    qml_register_types_Selvane_Tasks();
    qml_register_types_Selvane_Progress();
    qml_register_types_Selvane_Popover();
}

} // namespace selvane
