// Integers as text, the way tuning files and database rows write them: one number in decimal,
// a list as numbers separated by commas, blanks or both.
#pragma once

#include <string>
#include <vector>

namespace korvi {

// Reads one signed 32-bit integer exactly as stream extraction (classic locale) reads it, without a
// stream: leading blanks are skipped and reading stops at the first character that cannot continue
// the number. Text without a number gives 0; a number too large for an int gives INT_MAX/INT_MIN.
int string2Int(const std::string& text);

// Appends the integers of text to out, skipping any run of commas and blanks after each one; stops
// at the end of the text or at the first character that is neither a number, a comma nor a blank,
// and at a number too large for an int (which is not appended), as extraction from a stream does.
void string2IntVector(const std::string& text, std::vector<int>& out);

// Decimal like atoi (leading blanks, a sign, then digits; 0 without digits), but a number too
// large for an int is clamped to INT_MAX or INT_MIN instead of overflowing. The tuning reader
// reads IEQ preset ids and GEQ profile ids this way.
int decimal2Int(const std::string& text);

// Plain decimal, a minus sign for negatives.
std::string int2String(int value);

// Comma-separated decimal without a trailing comma ("" for an empty list): what string2IntVector
// reads back unchanged.
std::string intVector2String(const std::vector<int>& values);

}  // namespace korvi
