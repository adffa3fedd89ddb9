#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

namespace Guide {

// Where the walkthrough runs the command-line host: the host, the example
// project file (whose folder is copied into a scratch folder first), the
// package folder the host loads the plug-in from, and a stored record whose
// reference clock the calculation's example uses.
struct ProjectExample
{
    QString hostProgram;
    QString projectFile;
    QString packageDir;
    QMap<QString, QVariant> record;
};

// The section from a project file to one compiled design: the project
// file's format, the dialog on a project core with its Calculate button and
// quad bias question, and the walkthrough, quoting what the host really
// writes for the example project. Empty, with the reason in error, when a
// run of the host does not go as the walkthrough says.
QString projectSection(const ProjectExample &example, QString &error);

} // namespace Guide
