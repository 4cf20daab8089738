#pragma once

#include <QLoggingCategory>

/// Thousands of hostile inputs a second give as many messages.
inline void quietMessages()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.warning=false"));
}
