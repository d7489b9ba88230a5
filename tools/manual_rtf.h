// The manual as rich text, which word processors of any kind open: with numbered pages, contents
// and pictures.
#pragma once

#include <QByteArray>
#include <QString>

class QTextDocument;

// Empty when a picture is missing, which is told.
QByteArray manualAsRichText(const QTextDocument& text, const QString& pictures);
