#pragma once

#include "../hostglobal.h"

#include <QString>
#include <QStringList>

namespace IPSERDESIP {
namespace NameRules {

// A core's file name names a folder, which holds at most this many bytes.
constexpr int MaxFileNameBytes = 255;

// One message per problem of a core's file name, none when it may be used.
// The name must not be empty, must be a plain name (no "/" or "\", not "."
// or ".."), may hold only the letters A-Z and a-z, digits, "_", "-" and
// ".", and must fit in a folder name.
IPHOST_EXPORT QStringList fileNameProblems(const QString &name);

// Why a text cannot name a Verilog module, or an empty text when it can: a
// module name is a Verilog identifier that is not a reserved word.
IPHOST_EXPORT QString moduleNameProblem(const QString &name);

// True for the reserved words of Verilog-2001 (IEEE 1364-2001).
IPHOST_EXPORT bool isVerilogKeyword(const QString &word);

} // namespace NameRules
} // namespace IPSERDESIP
