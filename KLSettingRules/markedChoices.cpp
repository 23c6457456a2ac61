#include "markedChoices.h"

#include "listOf.h"
#include "ppdLibrary.h"

std::vector<std::pair<std::string, std::string>> markedChoices(const ppd_file_s &ppd)
{
    std::vector<std::pair<std::string, std::string>> marked;
    for (const ppd_group_t &group : listOf(ppd.groups, ppd.num_groups)) {
        for (const ppd_option_t &option : listOf(group.options, group.num_options)) {
            for (const ppd_choice_t &choice : listOf(option.choices, option.num_choices)) {
                if (choice.marked)
                    marked.emplace_back(option.keyword, choice.choice);
            }
        }
    }
    return marked;
}
