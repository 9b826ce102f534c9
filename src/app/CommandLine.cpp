#include "app/CommandLine.h"

#include <algorithm>

namespace app
{
namespace
{

constexpr int kMaxArguments = 255;  // tab numbers are kept in 8 bits

const QLatin1String kNoGeneration("-ng");
const QLatin1String kObkTemplate("-obk");
const QLatin1String kImageTemplate("-pb");
const QLatin1String kTab("-tab");

Step complaint(const wchar_t *text)
{
    Step step;
    step.kind = Step::Kind::Complaint;
    step.complaint = text;
    return step;
}

std::optional<QString> templatePath(const QStringList &arguments, int index)
{
    if (index >= arguments.size()) {
        return std::nullopt;
    }
    return QString(arguments[index]).replace(QLatin1Char('\\'), QLatin1Char('/'));
}

Step parseTab(const QStringList &arguments, int at)
{
    if (at + 2 >= arguments.size()) {
        return complaint(L"Please check the [-tab] argument values.\n"
                         L"Syntax: -tab [name] [index] ");
    }
    const workbench::Panel *panel = workbench::findPanel(arguments[at + 1]);
    if (panel == nullptr) {
        return complaint(L"Please check the [-tab] argument values\nWrong tab window name \n"
                         L"Syntax: -tab [name] [index]");
    }
    Step step;
    step.kind = Step::Kind::ShowTab;
    step.panel = panel;
    bool isNumber = false;
    step.index = arguments[at + 2].toInt(&isNumber, 10);
    if (!isNumber) {
        return complaint(L"Please check the [-tab] index value\nWrong tab window index \n"
                         L"Syntax: -tab [name] [index]");
    }
    return step;
}

bool endsParsing(const Step &step)
{
    const bool isTemplate =
        step.kind == Step::Kind::ObkTemplate || step.kind == Step::Kind::ImageTemplate;
    return step.kind == Step::Kind::Complaint || (isTemplate && !step.path);
}

}  // namespace

std::vector<Step> parseCommandLine(const QStringList &arguments)
{
    std::vector<Step> steps;
    bool noGeneration = false;
    const int end = std::min(static_cast<int>(arguments.size()), kMaxArguments);
    // Paths, names and numbers behind a switch are looked at again as arguments of their own.
    for (int at = 0; at < end; ++at) {
        if (arguments[at] == kNoGeneration) {
            noGeneration = true;
            steps.emplace_back();
            // The argument behind `-ng` belongs to the same pass, so it isn't another `-ng`.
            if (++at >= end) {
                break;
            }
        }
        Step step;
        if (arguments[at] == kObkTemplate) {
            step.kind = Step::Kind::ObkTemplate;
            step.path = templatePath(arguments, at + 1);
            step.hidesNextImagePage =
                noGeneration && at + 2 < arguments.size() && arguments[at + 2] != kImageTemplate;
        } else if (arguments[at] == kImageTemplate) {
            step.kind = Step::Kind::ImageTemplate;
            step.path = templatePath(arguments, at + 1);
        } else if (arguments[at] == kTab) {
            step = parseTab(arguments, at);
        } else {
            continue;
        }
        steps.push_back(step);
        if (endsParsing(step)) {
            break;
        }
    }
    return steps;
}

bool startsWithoutTabs(const QStringList &arguments)
{
    return arguments.size() > 1 && (arguments[1] == kNoGeneration || arguments[1] == kObkTemplate ||
                                    arguments[1] == kImageTemplate);
}

QString rangeComplaint(const workbench::Panel &panel)
{
    return QStringLiteral("Please check the [-tab] index value\nWrong tab window index for %1\n"
                          "Syntax: -tab [name] [index]")
        .arg(QString::fromLatin1(panel.name).toUpper());
}

}  // namespace app
