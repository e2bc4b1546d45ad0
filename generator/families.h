// Names of the device families, by main family number and language.

#pragma once

#include <array>
#include <string_view>

namespace typdescriptor::internal {

inline constexpr std::size_t kFamilyCount = 12;
inline constexpr std::size_t kLanguageCount = 5; // German, English, French, Spanish, Italian

inline constexpr std::array<std::array<std::string_view, kLanguageCount>, kFamilyCount> kFamilyNames{{
    {"Sonstige  ", "General   ", "General   ", "General   ", "Generale  "},
    {"Antriebe  ", "Drives    ", "Entrainem.", "Accionam. ", "Azionam.  "},
    {"Schaltger.", "Switch    ", "Ucommut.  ", "Conmut.   ", "Commutaz. "},
    {"I/O       ", "I/O       ", "E/S       ", "E/S       ", "I/U       "},
    {"Ventile   ", "Valves    ", "Vannes    ", "Valvulas  ", "Valvole   "},
    {"Regler    ", "Control   ", "Regulation", "Regulad.  ", "Controllo "},
    {"B+B       ", "MMI       ", "C+S       ", "MIO       ", "U+O       "},
    {"Encoder   ", "Encoder   ", "Codeur    ", "Codific.  ", "Encoder   "},
    {"NC        ", "NC        ", "CN        ", "NC        ", "NC        "},
    {"Gateway   ", "Gateway   ", "Gateway   ", "Gateway   ", "Gateway   "},
    {"SPS       ", "PLC       ", "API       ", "SPS       ", "SPS       "},
    {"Identsys. ", "Identsys. ", "Ident.    ", "Ident.    ", "Ident     "},
}};

} // namespace typdescriptor::internal
