#pragma once

class PanelPictures;

/// \file
/// The screens of the panel, one function for each part of it. Each function opens the screens by
/// clicks and by messages of the unit, takes their pictures, and leaves the menus on the screen.

void takeSpectrum(PanelPictures& panel);
void takeStart(PanelPictures& panel);
void takeMenus(PanelPictures& panel);
void takeMainMenus(PanelPictures& panel);
void takeEditors(PanelPictures& panel);
void takeScopes(PanelPictures& panel);
/// The scopes page with signals that are computed here, so that the pictures are always the same.
void takeSignals(PanelPictures& panel);

/// Every page of every menu that the unit has sent, in place of all the others.
void takeAllMenus(PanelPictures& panel);
