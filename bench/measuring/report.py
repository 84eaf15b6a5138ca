"""Medians, ratios and how they are printed."""

import json
import statistics


def medians(rounds):
    """The median of each value over the rounds in which it was seen; `rounds` is a list of dictionaries."""
    names = list(dict.fromkeys(name for one in rounds for name in one))
    return {name: statistics.median(one[name] for one in rounds if one.get(name) is not None)
            for name in names if any(one.get(name) is not None for one in rounds)}


def show(results, baselines):
    """Prints one line a party and value. `results` maps party names to lists of rounds; `baselines` names the party
    that each is compared with."""
    summary = {party: medians(rounds) for party, rounds in results.items()}
    names = list(dict.fromkeys(name for values in summary.values() for name in values))
    wide = max((len(name) for name in names), default=0)
    print(f"\n{'median':<{wide}}" + "".join(f"{party:>16}{'ratio':>8}" for party in summary))
    for name in names:
        cells = ""
        for party, values in summary.items():
            base = summary.get(baselines.get(party), {}).get(name)
            value = values.get(name)
            cells += f"{value:>16.1f}" if value is not None else f"{'-':>16}"
            cells += f"{value / base:>8.2f}" if value is not None and base else f"{'':>8}"
        print(f"{name:<{wide}}{cells}")
    return summary


def save(path, results, summary, **facts):
    """Writes everything measured as a JSON document."""
    with open(path, "w", encoding="utf-8") as file:
        json.dump({**facts, "rounds": results, "medians": summary}, file, indent=2)
        file.write("\n")
