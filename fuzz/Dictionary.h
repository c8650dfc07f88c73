#pragma once

#include <QByteArray>

/// \return a dictionary for libFuzzer: the command words of the link in both directions, its
/// separators and frame characters, the beginnings of a card's replies, and the words of menu files
/// and scenarios.
QByteArray fuzzDictionary();
