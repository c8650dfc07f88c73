#pragma once

#include "tools/screen/Screen.h" // IWYU pragma: export

/// Calls \a then with the modal dialog as soon as a new one is open, or fails the test after five
/// seconds. Call it before the code that opens the dialog. A check that fails in
/// \a then closes the dialog, because the test would otherwise wait for it forever.
void whenModal(const std::function<void(QWidget*)>& then);
