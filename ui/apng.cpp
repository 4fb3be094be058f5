// SPDX-License-Identifier: GPL-3.0-or-later
// Each picture is coded by the toolkit; its data goes into the animation's chunks. A chunk: length,
// name, data, CRC 32 of name and data; numbers have the highest byte first.
#include "ui/apng.h"

#include <zlib.h>

#include <QBuffer>
#include <QtEndian>

#include "core/runtime.h"

static const char signature[] = "\x89PNG\r\n\x1a\n";
static const qsizetype signaturelength = 8, chunkframe = 12;  // of a chunk beside its data

static QByteArray number(quint32 value) {
    QByteArray bytes(4, 0);
    qToBigEndian(value, bytes.data());
    return bytes;
}

static QByteArray shortnumber(quint16 value) {
    QByteArray bytes(2, 0);
    qToBigEndian(value, bytes.data());
    return bytes;
}

static QByteArray chunk(const char* name, const QByteArray& data) {
    const QByteArray body = name + data;
    const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(body.constData()), uInt(body.size()));
    return number(quint32(data.size())) + body + number(quint32(sum));
}

namespace {
struct pngparts {
    QByteArray head, data;  // of IHDR; of all IDAT
};
}  // namespace

static pngparts partsof(const QImage& image) {
    QBuffer png;
    if (!image.convertToFormat(QImage::Format_RGB888).save(&png, "PNG"))
        throw runtimeerror{errtype, "A picture of the animation can not be coded as PNG"};
    const QByteArray all = png.data();
    pngparts parts;
    for (qsizetype at = signaturelength; at + chunkframe <= all.size();) {
        const qsizetype length = qFromBigEndian<quint32>(all.constData() + at);
        const QByteArray name = all.mid(at + 4, 4), data = all.mid(at + 8, length);
        if (name == "IHDR") parts.head = data;
        if (name == "IDAT") parts.data += data;
        at += chunkframe + length;
    }
    return parts;
}

// Size and delay of a picture, which takes the place of the one before.
static QByteArray control(quint32 sequence, const QByteArray& head, int milliseconds) {
    const quint16 persecond = 1000;
    return number(sequence) + head.left(8) + number(0) + number(0) +
           shortnumber(quint16(milliseconds)) + shortnumber(persecond) + QByteArray(2, 0);
}

QByteArray apngof(int count, int milliseconds, const std::function<QImage(int)>& picture) {
    QByteArray file(signature, signaturelength), head;
    quint32 sequence = 0;
    for (int i = 0; i < count; ++i) {
        const pngparts parts = partsof(picture(i));
        if (i == 0) {
            head = parts.head;
            file += chunk("IHDR", head) + chunk("acTL", number(quint32(count)) + number(0));
        } else if (parts.head != head) {
            throw runtimeerror{errtype, "The view has changed its size between two pictures"};
        }
        file += chunk("fcTL", control(sequence++, head, milliseconds));
        file += i == 0 ? chunk("IDAT", parts.data) : chunk("fdAT", number(sequence++) + parts.data);
    }
    return file + chunk("IEND", {});
}
