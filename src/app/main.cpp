#include <iostream>
#include <string>
#include <vector>

#include "add_command.h"
#include "analyse_command.h"
#include "command_line.h"
#include "core/version.h"
#include "desktop_command.h"
#include "headless_command.h"
#include "install_command.h"
#include "play_command.h"
#include "simulate_command.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    const tavora::CommandLine line = tavora::parse_command_line(args);
    if (!line.error.empty()) {
        std::cerr << "tavora: " << line.error << "\n\n" << tavora::usage_text();
        return 2;
    }
    switch (line.action) {
        case tavora::CommandLine::Action::Help:
            std::cout << tavora::usage_text();
            return 0;
        case tavora::CommandLine::Action::Version:
            std::cout << "tavora " << tavora::kVersion << "\n";
            return 0;
        case tavora::CommandLine::Action::Play:
            return tavora::run_play_command(line.play_files, line.output, std::cout, std::cerr);
        case tavora::CommandLine::Action::Headless:
            return tavora::run_headless(line.home, line.output, line.record, line.web,
                                        line.cd_image);
        case tavora::CommandLine::Action::Install:
            return tavora::run_install(line.home, std::cout, std::cerr);
        case tavora::CommandLine::Action::Demo: {
            std::unique_ptr<tavora::DemoRest> rest;
            if (const int failed = tavora::make_demo(line.home, std::cout, std::cerr, &rest))
                return failed;
            return tavora::run_headless(line.home, line.output, {}, line.web, line.cd_image);
        }
        case tavora::CommandLine::Action::Simulate:
            return tavora::run_simulate(line, std::cout, std::cerr);
        case tavora::CommandLine::Action::Add:
            return tavora::run_add(line, std::cout, std::cerr);
        case tavora::CommandLine::Action::Analyse:
            return tavora::run_analyse(line, std::cout, std::cerr);
        case tavora::CommandLine::Action::Run:
            break;
    }
    std::unique_ptr<tavora::DemoRest> rest;
    if (const int failed = tavora::make_demo(line.home, std::cout, std::cerr, &rest)) return failed;
    if (!tavora::display_available()) {
        std::cerr << "tavora: no display, so the station plays headless (Ctrl+C stops it)\n";
        return tavora::run_headless(line.home, line.output, {}, line.web);
    }
    return tavora::run_desktop(argc, argv, line.home, line.output, line.web, line.screenshots);
}
