#pragma once

// Records and expected lines written as compact texts: a change list
// "key=value; key=value; !key" and a line list "a|b|c".

#include <config/configkeys.h>

#include <QFile>
#include <QRegularExpression>

namespace TestRecords {

inline QStringList lines(const QString &text)
{
    return text.split("|", Qt::SkipEmptyParts);
}
inline QStringList lines(const char *text)
{
    return lines(QString(text));
}
// A line list in which "~" stands for a prefix.
inline QStringList lines(const char *text, const char *prefix)
{
    return lines(QString(text).replace("~", QString(prefix)));
}

// The lines of a file; in the data files, lines starting with "#" are comments.
inline QStringList fileLines(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll())
        .split("\n", Qt::SkipEmptyParts)
        .filter(QRegularExpression("^[^#]"));
}

// The record with the changes, each value of the type its key holds; "!key" removes the key.
inline IPCPRI::ConfigMap with(IPCPRI::ConfigMap r, const QString &changes)
{
    for (const QString &change : changes.split(";", Qt::SkipEmptyParts)) {
        const QString key = change.section("=", 0, 0).trimmed();
        QVariant value = change.section("=", 1);
        if (const IPCPRI::Config::KeySpec *row = IPCPRI::Config::keySpec(key))
            value.convert(row->initial.userType());
        key.startsWith("!") ? void(r.remove(key.mid(1))) : void(r.insert(key, value));
    }
    return r;
}
inline IPCPRI::ConfigMap with(const IPCPRI::ConfigMap &r, const char *c)
{
    return with(r, QString(c));
}

// Every key at the value a new core starts with.
inline IPCPRI::ConfigMap initial()
{
    IPCPRI::ConfigMap r;
    for (const IPCPRI::Config::KeySpec &row : IPCPRI::Config::recordKeys())
        r.insert(row.key, row.initial);
    r.remove(IPCPRI::Config::Key::Mode64b66b); // present only from 8.11008 Gbps on
    return r;
}

// Every key that generation reads away from its initial value: 12.16512 Gbps
// on Q1 Lane3 of a DVB-1 device, every flag and every optional port set.
inline IPCPRI::ConfigMap away()
{
    return with(
        initial(),
        "target_device=DVB-1-C2I1; file=ip1; module=my_cpri; 3.072G_and_Under=true;"
        "6.144G_and_Under=true; 9.8304G_and_Under=true; 10.1376G_and_Under=true;"
        "12.16512G_and_Under=true; Config_Clk_Period=150; MII=false; GMII=true;"
        "Initial_Protocol_Version1=false; Initial_Protocol_Version2=true;"
        "Initial_Scrambler_Seed=7FFFFFFF; Initial_HDLC_Rate=7; Initial_HDLC_Byte=f;"
        "Initial_HDLC_Mask=FFFF; Initial_Ethernet_Pointer=3F; Fixed_Config_Enable=true;"
        "Real_Time_Vendor=true; Master=true; Slave=true; Channel_Selection=Q1 Lane3;"
        "Line_Rate=12.16512Gbps; Reference_CLK_Source=MCLK; Reference_CLK_Frequency=156.250;"
        "PLL_Selection=CPLL; Loopback_Mode=LB_FES; 64B_66B_Mode=Fabric; highest_SpeedIndex=10;"
        "speedEnables_Record=011101111111; DIFFERENTIAL_SWING=228mV; FFEMODE=Manual; FFE_CM=4;"
        "FFE_C1=3; FFE_C0=33; SD_THRESHOLD=25mV; Equalization_Mode=Manual; ATT=2; BOOST=15;"
        "Loopback_Ports=true; DRP_Ports=true; PRBS_Pattern_Generator_Ports=true;"
        "Differential_Swing_Ports=true; FFE_Ports=true; PRBS_Pattern_Checker_Ports=true;"
        "Equalization_Ports=true; BIAS_Ports=true; ifChangedAllOfBias=true");
}

} // namespace TestRecords
