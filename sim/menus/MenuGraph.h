#pragma once

#include "sim/menus/MenuStep.h"

#include <QByteArray>

/// \return the menus as a graph in the language of Graphviz: a box for each menu with the number of
/// its keys, an arrow for each key that opens a menu. Menus that the operator cannot reach are
/// dashed and red; what a key opens although it does not exist is dotted. When the file has
/// "CLEAR", the graph shows what comes after the last one.
QByteArray menuGraph(const MenuContent& content);
