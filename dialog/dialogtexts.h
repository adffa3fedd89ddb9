#pragma once

#include <QString>
#include <QStringList>

namespace IPCPRI {
namespace Texts {

// Tab titles, in tab order.
extern const QString CoreTab;
extern const QString PhyTab;
extern const QString AfeTab;
extern const QString OptTab;

// Message box titles.
extern const QString ErrorTitle;
extern const QString WarningTitle;
extern const QString FailureTitle;
extern const QString SucceedTitle;
extern const QString QuestionTitle;

// Messages.
extern const QString NoAvailableLanes;
extern const QString EnableSpeed;
extern const QString SelectSpeedSelection;
extern const QString C0TooSmall;
extern const QString RefClockUnreachable;
extern const QString LineRateUnreachable;
extern const QString Succeed;
extern const QString BiasQuestion;
extern const QString IncompatibleVersion;
extern const QString ListSeparator;

// The line rate a stored record without one loads, until the rate boxes are read.
extern const QString LoadedLineRate;
extern const QString HexConversionFailed;

// The failure a calculation reports when the transceiver generator refuses
// the settings: its own error lines, or the line-rate message without any.
inline QString calculationFailure(const QStringList &generatorErrors)
{
    return generatorErrors.isEmpty() ? LineRateUnreachable
                                     : generatorErrors.join(QLatin1Char('\n'));
}

// Images of the host's message boxes.
extern const QString ModuleImage;
extern const QString ExclamationImage;

} // namespace Texts
} // namespace IPCPRI
