#include "xml/XmlValidatorDetails.h"

void XmlValidatorDetails::handleMessage(QtMsgType type, const QString &description, const QUrl &,
                                        const QSourceLocation &location)
{
    m_type = type;
    m_description = description;
    m_location = location;
}
