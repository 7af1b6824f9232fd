#include "audio/MicrophoneChoice.h"

#include <QLatin1String>

#include <algorithm>

namespace mevo {

namespace {

constexpr const char *ProductWords[] = {"OR", "QMZ", "mirandel"};

} // namespace

bool isProductMicrophone(const QString &name)
{
    return std::any_of(std::begin(ProductWords), std::end(ProductWords),
                       [&name](const char *word) { return name.contains(QLatin1String(word)); });
}

QString productMicrophone(const QStringList &names)
{
    const auto found = std::find_if(names.begin(), names.end(), isProductMicrophone);
    return found == names.end() ? QString() : *found;
}

} // namespace mevo
