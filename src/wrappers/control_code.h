// The in-band control entry: this value, given to Egl::_eglBindAPI or Es1::_glDisable, stops recording for
// good.
#pragma once

constexpr unsigned int kPreventSavingCode = 0x433;
