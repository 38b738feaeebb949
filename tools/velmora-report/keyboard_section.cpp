#include "velmora-report/keyboard_section.h"

#include <velmora/keyboard.h>

namespace report {

Section KeyboardSection() {
  return {.key = "keyboard",
          .title = "Keyboard",
          .rows = {{"name", "Name", TextValue(CKeyBoard().GetKeyBoardName())}}};
}

}  // namespace report
