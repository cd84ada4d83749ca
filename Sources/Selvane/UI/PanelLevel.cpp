#include "Selvane/UI/PanelLevel.h"

namespace selvane {

PanelLevel panelLevel(std::optional<ProgramWindow> key, std::optional<ProgramWindow> closing) {
    if (!key || key == closing)
        return PanelLevel::floating;
    switch (*key) {
    case ProgramWindow::main:
        return PanelLevel::normal;
    case ProgramWindow::panel:
    case ProgramWindow::other:
        return PanelLevel::floating;
    }
    __builtin_unreachable();
}

} // namespace selvane
