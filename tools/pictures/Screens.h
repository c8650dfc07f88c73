#pragma once

class PanelPictures;

/// \file
/// The screens of the panel, one function for each part of it. Each function opens the screens by
/// clicks and by messages of the unit, takes their pictures, and leaves the menus on the screen.

/// The spectrum page with one to three charts.
void takeSpectrum(PanelPictures& panel);
/// The first menu, the page without menus, and the special menu.
void takeStart(PanelPictures& panel);
/// Menus of the default menu file and every state of a key.
void takeMenus(PanelPictures& panel);
/// The PAX menu of a unit that has sent no menus and has no spectrum.
void takePaxBeforeSpectrum(PanelPictures& panel);
/// The main menus, the window of the link mode, and message boxes.
void takeMainMenus(PanelPictures& panel);
/// Long status texts, a silent main unit, and one that is gone. The unit is at its end then.
void takeNotices(PanelPictures& panel);
/// Every modal editor.
void takeEditors(PanelPictures& panel);
/// The scopes page with the signals of the unit.
void takeScopes(PanelPictures& panel);
/// The scopes page with signals that are computed here, so that the pictures are always the same.
void takeSignals(PanelPictures& panel);
/// One scope enlarged, with its keys and numbers, for each kind of signal. The signals are computed
/// here.
void takeEnlargedScopes(PanelPictures& panel);
