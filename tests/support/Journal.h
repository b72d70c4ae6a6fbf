#pragma once

#include <QStringList>

namespace cinedisc::test {

/// What stand-ins were told, in order: "ezDicom.BestFit=True".
class Journal {
  public:
    template <typename Value>
    void put(const QString& control, const char* member, const Value& value) {
        entries_ << QString("%1.%2=%3").arg(control, member, text(value));
    }
    void call(const QString& what) { entries_ << what; }

    const QStringList& entries() const { return entries_; }
    /// The entries of one control or member: those that start so.
    QStringList entries(const QString& start) const {
        QStringList found;
        for (const QString& entry : entries_) {
            if (entry.startsWith(start)) found << entry;
        }
        return found;
    }
    void clear() { entries_.clear(); }

  private:
    static QString text(const QString& value) { return value; }
    static QString text(bool value) { return value ? "True" : "False"; }
    static QString text(double value) { return QString::number(value); }
    static QString text(int value) { return QString::number(value); }

    QStringList entries_;
};

}  // namespace cinedisc::test
