#include "refhost/YamlText.h"

#include <yaml-cpp/eventhandler.h>

#include <sstream>

namespace refhost {

namespace {

/// Hears where documents begin; what is in them it does not keep.
class DocumentStarts : public YAML::EventHandler {
  public:
    YAML::Mark last;

  private:
    void OnDocumentStart(const YAML::Mark& mark) override { last = mark; }
    void OnDocumentEnd() override {}
    void OnNull(const YAML::Mark&, YAML::anchor_t) override {}
    void OnAlias(const YAML::Mark&, YAML::anchor_t) override {}
    void OnScalar(const YAML::Mark&, const std::string&, YAML::anchor_t, const std::string&) override {}
    void OnSequenceStart(const YAML::Mark&, const std::string&, YAML::anchor_t, YAML::EmitterStyle::value) override {}
    void OnSequenceEnd() override {}
    void OnMapStart(const YAML::Mark&, const std::string&, YAML::anchor_t, YAML::EmitterStyle::value) override {}
    void OnMapEnd() override {}
};

}  // namespace

YAML::Node yamlDocument(const std::string& text) {
    const YAML::Node document = YAML::Load(text);
    std::istringstream in(text);
    YAML::Parser parser(in);
    DocumentStarts starts;
    // Two at most: behind some faults the library finds document after document without going on in the text.
    if (parser.HandleNextDocument(starts) && parser.HandleNextDocument(starts)) {
        throw YAML::ParserException(starts.last, "more behind the end of the document");
    }
    return document;
}

}  // namespace refhost
