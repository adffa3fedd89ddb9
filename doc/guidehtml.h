#pragma once

// The small pieces of HTML the user guide is written with.

#include <QFile>
#include <QString>
#include <QStringList>

namespace Guide {

// How the guide writes a core's folder in the working directory.
inline const QString CoreFolder = QStringLiteral("WORKDIR/<file>");

inline QString esc(const QString &text)
{
    return text.toHtmlEscaped();
}

inline QString code(const QString &text)
{
    return QStringLiteral("<code>%1</code>").arg(esc(text));
}

inline QString codes(const QStringList &texts)
{
    QStringList items;
    for (const QString &text : texts)
        items << code(text);
    return items.join(QStringLiteral(", "));
}

// Preformatted lines; attributes (such as class="shell") go into the tag.
inline QString pre(const QStringList &lines, const QString &attributes = QString())
{
    return QStringLiteral("<pre%1>%2</pre>\n")
        .arg(attributes.isEmpty() ? QString() : QLatin1Char(' ') + attributes,
             esc(lines.join(QLatin1Char('\n'))));
}

inline QString row(const QStringList &cells, const QString &tag = QStringLiteral("td"))
{
    QString html = QStringLiteral("<tr>");
    for (const QString &cell : cells)
        html += QStringLiteral("<%1>%2</%1>").arg(tag, cell);
    return html + QStringLiteral("</tr>\n");
}

// A table of a header row and the rows given; an id names it for readers
// that look tables up.
inline QString table(const QStringList &header, const QString &rows, const QString &id = QString())
{
    QStringList heads;
    for (const QString &h : header)
        heads << esc(h);
    const QString open =
        id.isEmpty() ? QStringLiteral("<table>\n") : QStringLiteral("<table id=\"%1\">\n").arg(id);
    return open + row(heads, QStringLiteral("th")) + rows + QStringLiteral("</table>\n");
}

// A number as the guide writes frequencies and rates: up to ten significant digits.
// The lines of a data file that say something: not blank, not a comment
// ('#' first); empty, with the reason in error, when it cannot be read.
inline QStringList dataLines(const QString &path, QString &error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        error = QStringLiteral("cannot read %1").arg(path);
        return {};
    }
    QStringList lines;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        if (!line.trimmed().isEmpty() && !line.startsWith(QLatin1Char('#')))
            lines << line;
    }
    return lines;
}

inline QString number(double value)
{
    return QString::number(value, 'g', 10);
}

} // namespace Guide
