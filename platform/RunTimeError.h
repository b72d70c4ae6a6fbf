#pragma once

#include <QString>

#include <exception>
#include <utility>

namespace cinedisc {

/// A run-time error of the forms: a number with its usual text. Command handlers trap it (trapErrors) or let
/// it end the program (see EventGuard).
class RunTimeError : public std::exception {
  public:
    static RunTimeError overflow() { return {6, "Overflow"}; }
    static RunTimeError outOfMemory() { return {7, "Out of memory"}; }
    static RunTimeError internalError() { return {51, "Internal error"}; }
    static RunTimeError fileNotFound() { return {53, "File not found"}; }
    static RunTimeError pathFileAccess() { return {75, "Path/File access error"}; }
    static RunTimeError pathNotFound() { return {76, "Path not found"}; }
    static RunTimeError objectNotSet() { return {91, "Object variable or With block variable not set"}; }
    static RunTimeError noArrayElement(int index) {
        return {340, QString("Control array element '%1' doesn't exist").arg(index)};
    }
    static RunTimeError invalidPropertyValue() { return {380, "Invalid property value"}; }

    int number() const { return number_; }
    const QString& text() const { return text_; }
    const char* what() const noexcept override { return what_.constData(); }

  private:
    RunTimeError(int number, QString text)
        : number_(number),
          text_(std::move(text)),
          what_(QString("%1: %2").arg(number_).arg(text_).toUtf8()) {}

    int number_;
    QString text_;
    QByteArray what_;
};

/// Runs a handler whose errors end it quietly, keeping what was already done: run-time errors, and what the
/// libraries raise in their place, as when memory or threads run out.
template <typename Handler>
void trapErrors(Handler&& handler) {
    try {
        std::forward<Handler>(handler)();
    } catch (const std::exception&) {
    }
}

}  // namespace cinedisc
