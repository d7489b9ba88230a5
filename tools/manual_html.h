// The manual as one page for a browser, with its pictures in it.
#pragma once

#include <QByteArray>
#include <QString>

class QTextDocument;

// Empty when a picture is missing, which is told.
QByteArray manualAsPage(const QTextDocument& text, const QString& pictures);
