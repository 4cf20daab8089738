#include "views/sequence/OrvgMseqView.h"

OrvgMseqView::OrvgMseqView(QWidget* parent, orv::OrvCtrlClient*) : QWidget(parent) {}

void OrvgMseqView::setCtrlClient(orv::OrvCtrlClient*) {}

bool OrvgMseqView::readSteps(bool)
{
    return false;
}

bool OrvgMseqView::writeSteps(bool)
{
    return false;
}

void OrvgMseqView::writeXml(QXmlStreamWriter&) {}

bool OrvgMseqView::readFromXml(QXmlStreamReader&, std::string&)
{
    return false;
}
