#include "embedded/dxl/agent_elements.h"
#include "embedded/dxl/form_elements.h"
#include "embedded/dxl/resource_elements.h"
#include "embedded/dxl/view_elements.h"

namespace lens {

namespace {

std::unique_ptr<DesignReader> makeDesignReader(const DesignKind& kind, ReadContext& context, Note& note) {
  const QStringView element(kind.element);
  if (element == u"view" || element == u"folder") return std::make_unique<ViewReader>(kind, context, note);
  if (element == u"agent") return std::make_unique<AgentReader>(kind, context, note);
  if (element == u"scriptlibrary" || element == u"databasescript")
    return std::make_unique<LibraryReader>(kind, context, note);
  if (element == u"imageresource" || element == u"fileresource" || element == u"stylesheetresource")
    return std::make_unique<ResourceReader>(kind, context, note);
  if (element == u"form" || element == u"subform" || element == u"page" || element == u"sharedfield" ||
      element == u"helpusingdocument" || element == u"helpaboutdocument")
    return std::make_unique<FormReader>(kind, context, note);
  return std::make_unique<DesignReader>(kind, context, note);
}

}  // namespace

void readDesignElement(const DesignKind& kind, ReadContext& context, Note& note,
                       const std::function<bool()>& other) {
  const std::unique_ptr<DesignReader> reader = makeDesignReader(kind, context, note);
  while (context.in.nextChild()) {
    if (!other() && !reader->readChild()) keepElement(context, note);
  }
  reader->finish();
}

}  // namespace lens
