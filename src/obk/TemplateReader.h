#pragma once
#include "obk/NumberText.h"
#include "obk/Template.h"

#include <QDomNode>

#include <string>

namespace obk
{

/// The text of a node's first child; empty when that is no text.
std::string get_txt(const QDomNode &node);

/// Reads one child of "Obdata" that makes an item, or "Info".
/// @param item  fresh; gets the element's fields, unless the element is "Info"
/// @param model gets the settings of "Info" and the element's tag list
/// @return the sentence for the user when a text has a form that its tag doesn't allow
Result<void> readElement(const QDomNode &node, ObDataItem &item, Template &model);

/// Reads all children of "Obdata". Comments and elements that aren't known make no item.
/// @param model  fresh; holds what was read so far after a refusal
Result<void> readObdata(const QDomNode &obdata, Template &model);

/// Reads all children of "McubootFormat", an image template: "GlobalParam", "Param" and "Output".
/// @param model  fresh; holds what was read so far after a refusal
Result<void> readMcuboot(const QDomNode &format, Template &model);

/// Reads the first child of the document element, whichever kind of template it is. One of another
/// name holds nothing.
Result<void> readRoot(const QDomNode &format, Template &model);

}  // namespace obk
