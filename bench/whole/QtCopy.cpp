// Reads a file with QXmlStreamReader and writes it to standard output with QXmlStreamWriter.

#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <cstdio>

int main(int, char** arguments) {
    QFile in(QString::fromLocal8Bit(arguments[1])), out;
    if (!in.open(QIODevice::ReadOnly) || !out.open(stdout, QIODevice::WriteOnly))
        return 1;
    QXmlStreamReader reader(&in);
    QXmlStreamWriter writer(&out);
    while (reader.readNext() != QXmlStreamReader::Invalid && !reader.atEnd())
        writer.writeCurrentToken(reader);
    return reader.hasError() ? 1 : 0;
}
