#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <string>
#include <vector>

/// The numbers of a value's text, whatever the locale of the program.
inline std::vector<double> numbersIn(const std::string& text)
{
    std::vector<double> numbers;
    for (const QByteArray& word : QByteArray::fromStdString(text).replace(',', ' ').simplified().split(' ')) {
        bool isNumber = false;
        const double number = word.toDouble(&isNumber);
        if (!isNumber)
            break;
        numbers.push_back(number);
    }
    return numbers;
}

/// A number as scenes write it, with a point in every locale.
inline std::string textOf(double number)
{
    return QByteArray::number(number, 'f', 6).toStdString();
}
