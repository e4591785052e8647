#include <memory>

#include "command_line.h"
#include "failure.h"
#include "option_values.h"
#include "output.h"

namespace vyra_tool {
namespace {

const char* const completion_guide =
    R"GUIDE(Prints a script with which a shell completes commands and options at the Tab key. In
PowerShell put the second example into the profile ($PROFILE), in bash the third one into
~/.bashrc.

Examples:
  vyra completion powershell
  vyra completion powershell | Out-String | Invoke-Expression
  eval "$(vyra completion bash)")GUIDE";

// The options of a command with blanks between them; of the tool itself, its commands as well.
std::string words_of(const CLI::App& command)
{
    std::string words;
    for (const CLI::App* each : command.get_subcommands(nullptr)) {
        words += (words.empty() ? "" : " ") + each->get_name();
    }
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            words += (words.empty() ? "--" : " --") + name;
        }
    }
    return words;
}

std::string bash_script(const CLI::App& app)
{
    std::string script =
        "_vyra()\n"
        "{\n"
        "    local words=\"" +
        words_of(app) +
        "\" word\n"
        "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
        "        case $word in\n";
    for (const CLI::App* command : app.get_subcommands(nullptr)) {
        script += "            " + command->get_name() + ") words=\"" + words_of(*command) + "\"; break ;;\n";
    }
    return script +
           "        esac\n"
           "    done\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"${COMP_WORDS[COMP_CWORD]}\")\n"
           "}\n"
           "complete -o default -F _vyra vyra vyra.exe\n";
}

std::string powershell_script(const CLI::App& app)
{
    std::string script =
        "Register-ArgumentCompleter -Native -CommandName vyra, vyra.exe -ScriptBlock {\n"
        "    param($wordToComplete, $commandAst, $cursorPosition)\n"
        "    $words = '" +
        words_of(app) +
        "'\n"
        "    foreach ($element in $commandAst.CommandElements | Select-Object -Skip 1) {\n"
        "        if ($element.Extent.EndOffset -ge $cursorPosition) { break }\n"
        "        switch ($element.Extent.Text) {\n";
    for (const CLI::App* command : app.get_subcommands(nullptr)) {
        script += "            '" + command->get_name() + "' { $words = '" + words_of(*command) + "' }\n";
    }
    return script +
           "        }\n"
           "    }\n"
           "    $words -split ' ' | Where-Object { $_ -like \"$wordToComplete*\" } | ForEach-Object {\n"
           "        [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterName', $_)\n"
           "    }\n"
           "}\n";
}

}  // namespace

void add_completion(CLI::App& app, Command_line& line)
{
    auto shell = std::make_shared<std::string>();
    CLI::App* command =
        add_command(app, line, "completion", "Print a script that completes commands in a shell", completion_guide);
    command->add_option("shell", *shell, "bash or powershell")
        ->required()
        ->check(one_of({"bash", "powershell"}))
        ->option_text("SHELL (required)");
    command->callback([&app, &line, shell] {
        line.needs_library = false;
        line.action = [&app, shell](const Common_options&, Output& output) {
            output.lines(*shell == "bash" ? bash_script(app) : powershell_script(app));
        };
    });
}

}  // namespace vyra_tool
