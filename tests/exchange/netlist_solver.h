// Reads the classic netlists as their programs would and solves them by nodal analysis, so that a test sees the circuit
// that a text describes. Shares nothing with the writers.
#pragma once

#include <array>
#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/nodal_equations.h"

namespace kavrel::testing {

// What a netlist holds: admittances follow their law, y(s) = 1/(R + s L), s C, of pairs both.
struct NetworkReader {
    struct Arm {
        int from, to;
        double R = 0, L = 0, C = 0;  // of a pair L and C
        bool parallel = false;
    };
    struct Transformer {
        int a, b, c, d;
        double ratio;
    };
    struct Coils {
        int a, b, c, d;
        double l1, l2, k;
    };

    std::vector<Arm> arms;
    std::vector<Transformer> transformers;
    std::vector<Coils> coils;
    int port1 = 1, port2 = 0;
    int foreign = 0;  // lines that were not understood

    [[nodiscard]] LongComplex admittance(const Arm& arm, LongComplex s) const {
        const LongComplex zl = s * static_cast<long double>(arm.L), yc = s * static_cast<long double>(arm.C);
        if (arm.R != 0) return 1.0L / static_cast<long double>(arm.R);
        if (arm.L != 0 && arm.C != 0) return arm.parallel ? 1.0L / zl + yc : 1.0L / (zl + 1.0L / yc);
        return arm.L != 0 ? 1.0L / zl : yc;
    }

    // S21 between the ports with these terminations.
    [[nodiscard]] LongComplex transmission(double f, double R1, double R2) const {
        const LongComplex s{0, 2 * std::acos(-1.0L) * static_cast<long double>(f)};
        NodalEquations net;
        for (const Arm& arm : arms) net.admittance(arm.from, arm.to, admittance(arm, s));
        for (const Transformer& t : transformers)
            net.transformer(t.a, t.b, t.c, t.d, static_cast<long double>(t.ratio));
        for (const Coils& c : coils) {
            const long double m = c.k * std::sqrt(c.l1 * c.l2), l1 = c.l1, l2 = c.l2;
            net.two_port(c.a, c.b, c.c, c.d, s * l1, s * m, s * l2);
        }
        // 2 V behind R1: the wave that arrives is V2 sqrt(R1/R2).
        net.voltage(port1, 2, static_cast<long double>(R1));
        net.admittance(port2, 0, 1 / static_cast<long double>(R2));
        return net.solution().at(port2) * std::sqrt(static_cast<long double>(R1 / R2));
    }
};

inline std::vector<std::string> words_of(const std::string& line) {
    std::string spaced = line;
    for (std::size_t i = 0; (i = spaced.find('=', i)) != std::string::npos; i += 2) {
        while (i > 0 && spaced[i - 1] == ' ') spaced.erase(--i, 1);
        spaced.insert(i + 1, " ");
    }
    std::istringstream in(spaced);
    std::vector<std::string> words;
    for (std::string word; in >> word && word[0] != '!' && word[0] != '*' && word[0] != '\'';) words.push_back(word);
    return words;
}

// Scompact, Touchstone and SStar.
inline NetworkReader read_classic(const std::string& text) {
    NetworkReader net;
    std::map<std::string, std::vector<NetworkReader::Arm>> one_ports;  // arms of lattices, nodes 1 and 2 or 0
    std::map<std::string, std::vector<std::pair<std::string, std::array<int, 2>>>> four_ports;
    std::vector<NetworkReader::Arm> block;
    std::vector<std::pair<std::string, std::array<int, 2>>> places;
    const auto number = [](const std::string& word) { return std::stoi(word); };
    const auto put = [&](const std::string& z, int from, int to) {
        for (NetworkReader::Arm arm : one_ports[z]) arm.from = from, arm.to = to, net.arms.push_back(arm);
    };
    std::istringstream in(text);
    bool in_circuit = true;
    for (std::string line; std::getline(in, line);) {
        const auto w = words_of(line);
        if (w.empty()) continue;
        if (w[0] == "freq") in_circuit = false;
        if (!in_circuit || w[0] == "blk" || w[0] == "ckt" || w[0] == "circuit" || w[0] == "end") continue;
        if (w[0] == "lad") {
            block.clear();
        } else if (w[0].size() == 3 && w[0][0] == 'z' && w[0][2] == ':') {
            one_ports[w[0].substr(0, 2)] = block, block.clear();
        } else if (w[0] == "a:") {
            net.port1 = number(w[2]), net.port2 = number(w[3]);
            for (const auto& arm : block) net.arms.push_back(arm);
        } else if (w[0] == "def2p") {
            if (w[3][0] == 'z') {
                one_ports[w[3]] = block, block.clear();
            } else {
                net.port1 = number(w[1]), net.port2 = number(w[2]);
                for (const auto& arm : block) net.arms.push_back(arm);
            }
        } else if (w[0] == "def4p") {
            four_ports[w[5]] = places, places.clear();
        } else if (w[0].starts_with("sec")) {
            for (const auto& [z, ends] : four_ports[w[0]]) {
                put(z, number(w[static_cast<std::size_t>(ends[0])]), number(w[static_cast<std::size_t>(ends[1])]));
            }
        } else if (w[0].size() == 2 && w[0][0] == 'z') {
            if (four_ports.empty() && one_ports.contains(w[0]) && text.find(" def4p") == std::string::npos) {
                put(w[0], number(w[1]), number(w[2]));
            } else {
                places.emplace_back(w[0], std::array{number(w[1]), number(w[2])});
            }
        } else if (w[0] == "xfer" || w[0] == "trf") {
            const bool turns = w[5] == "o=";
            const double ratio = turns ? std::stod(w[10]) / std::stod(w[8]) : std::stod(w[6]);
            if (turns) {
                net.transformers.push_back({number(w[1]), number(w[2]), number(w[3]), number(w[4]), ratio});
            } else {
                // First node of each winding, then the last ones.
                net.transformers.push_back({number(w[1]), number(w[3]), number(w[2]), number(w[4]), ratio});
            }
        } else if (w[0] == "mui") {
            net.coils.push_back({number(w[1]), number(w[2]), number(w[3]), number(w[4]), std::stod(w[6]),
                                 std::stod(w[8]), std::stod(w[10])});
        } else if (w[0] == "res" || w[0] == "ind" || w[0] == "cap" || w[0] == "slc" || w[0] == "plc" || w[0] == "sfc") {
            // A ladder's one-port has a single node.
            const bool one_node = w[2].find('=') != std::string::npos;
            std::size_t i = one_node ? 2 : 3;
            NetworkReader::Arm arm{.from = number(w[1]), .to = one_node ? 0 : number(w[2]), .parallel = w[0] == "plc"};
            double f = 0;
            for (; i + 1 < w.size(); i += 2) {
                const double value = std::stod(w[i + 1]);
                (w[i] == "r=" ? arm.R : w[i] == "l=" ? arm.L : w[i] == "c=" ? arm.C : f) = value;
            }
            if (f != 0) arm.L = 1 / (std::pow(2 * std::acos(-1.0) * f, 2) * arm.C);
            block.push_back(arm);
        } else {
            ++net.foreign;
        }
    }
    return net;
}

// Spice: 2 V behind the first resistor.
struct SpiceReader {
    NetworkReader net;
    double R1 = 0, R2 = 0;
    std::string print;
};
inline SpiceReader read_spice(const std::string& text) {
    SpiceReader spice;
    std::map<std::string, NetworkReader::Arm> inductors;
    std::vector<NetworkReader::Arm> resistors;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        const auto w = words_of(line);
        if (w[0] == ".print") spice.print = line;
        if (w[0][0] == '.' || w[0] == "vin") continue;
        if (w[0][0] == 'k') {
            const auto &a = inductors[w[1]], &b = inductors[w[2]];
            spice.net.coils.push_back({a.from, a.to, b.from, b.to, a.L, b.L, std::stod(w[3])});
            inductors.erase(w[1]), inductors.erase(w[2]);
            continue;
        }
        NetworkReader::Arm arm{.from = std::stoi(w[1]), .to = std::stoi(w[2])};
        const double value = std::stod(w[3]);
        (w[0][0] == 'r' ? arm.R : w[0][0] == 'l' ? arm.L : arm.C) = value;
        if (w[0][0] == 'l') {
            inductors[w[0]] = arm;
        } else if (w[0][0] == 'r') {
            resistors.push_back(arm);
        } else {
            spice.net.arms.push_back(arm);
        }
    }
    for (const auto& [name, arm] : inductors) spice.net.arms.push_back(arm);
    spice.net.port1 = resistors.front().to;
    spice.net.port2 = resistors.back().from;
    spice.R1 = resistors.front().R;
    spice.R2 = resistors.back().R;
    for (std::size_t i = 1; i + 1 < resistors.size(); ++i) spice.net.arms.push_back(resistors[i]);
    return spice;
}

}  // namespace kavrel::testing
