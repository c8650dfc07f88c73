#pragma once

#include "tools/screen/Screen.h" // IWYU pragma: export

/// Calls \a then with the modal dialog as soon as one is up that was not up before, or fails the
/// test after five seconds. Call it before the code that opens the dialog. A check that fails in
/// \a then closes the dialog, because the test would otherwise wait for it for ever.
void whenModal(const std::function<void(QWidget*)>& then);
