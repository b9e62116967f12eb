// Text forms of property values shared by the controls' property registries: Booleans
// as the platform writes them, numbers read strictly, captions without accelerator marks.
#pragma once
#include <string>

namespace kiv::ui {

//! "True" or "False".
std::string BoolText(bool v);
//! Reads "True"/"False" (any case), "1"/"0"/"-1"; VbError 13 otherwise.
bool ParseBoolText(const std::string& text);
//! Reads a whole number (surrounding blanks allowed); VbError 13 otherwise.
int ParseIntText(const std::string& text);
//! True and the number when `text` is a whole number, false otherwise.
bool TryParseInt(const std::string& text, int& out);
//! Reads "[a,b]" into two numbers; false when the text is not of that form.
bool ReadPair(const std::string& text, int& a, int& b);
//! Reads "name[arg]" (name without regard to case) into its argument; false when `text`
//! is not `name` with brackets.
bool ReadIndexed(const std::string& text, const std::string& name, std::string& arg);
//! Raises a control error with its platform description: 380 "Invalid property value",
//! 381 "Invalid property array index", 383 "Property is read-only", 438 "Object doesn't
//! support this property or method", 35600 "Index out of bounds", 35601 "Element not
//! found", 35602 "Key is not unique in collection"; other numbers as the core names them.
[[noreturn]] void RaiseControlError(int number);
//! A caption as read: "&" accelerator marks dropped, "&&" kept as one "&".
std::string StripAccelerator(const std::string& caption);

}  // namespace kiv::ui
