// What the forms share on Qt's side: their unit of layout, their font, the widening of
// controls whose text this platform's font makes longer, and the program's Windows-1252
// texts on widgets.
#pragma once

#include <string>

class QString;
class QWidget;

namespace quilmark {

// Twips, the forms' unit of layout, to pixels at 96 dots per inch.
constexpr int Twips(int twips) {
    return twips / 15;
}

// The forms' font: a narrow 8-point face, as near as this platform comes to the metrics the
// layouts in twips were made for.
void Use_Program_Font();
// Widens a label, check box or option button to its text where the layout is too narrow
// for this platform's font.
void Fit_Width(QWidget* control);
// Places a dialog at the top left corner of the screen, above all other windows, keeping
// its size.
void Put_On_Top_At_Corner(QWidget& form);

// Windows-1252 texts of the program on Qt widgets.
QString Ansi_To_QString(const std::string& ansi);
std::string QString_To_Ansi(const QString& text);

} // namespace quilmark
