// The members of a module as the camera holds them: found by path, watched by what shows them.

/// Where a member lies in the schema: data[2].value is data.value.
export function schemaPath(path) {
    return path.replaceAll(/\[\d+\]/g, "");
}

export function isLeaf(member) {
    return member.kind !== "record" && member.kind !== "list";
}

/// Texts of one number may differ: 0.5 and 0.500000.
function isSameValue(one, other) {
    return one === other || (one !== "" && other !== "" && Number(one) === Number(other));
}

/// All numbers, choices and the like at and below a member, in their order.
export function leavesOf(member) {
    return isLeaf(member) ? [member] : member.members.flatMap(leavesOf);
}

export class Members {
    #byPath = new Map();
    #above = new Map();
    #watchers = new Map();

    /// @param members those of the module, as the server tells them
    constructor(members) {
        this.all = members;
        this.#add(members, null);
    }

    #add(members, above) {
        for (const member of members) {
            this.#byPath.set(member.path, member);
            this.#above.set(member.path, above);
            this.#add(member.members, member);
        }
    }

    find(path) {
        return this.#byPath.get(path);
    }

    /// The first entry of lists on the way stands for all.
    findInSchema(path) {
        return [...this.#byPath.values()].find((member) => schemaPath(member.path) === path);
    }

    /// @return the member's path behind those of all that hold it, outermost first
    way(path) {
        const above = this.#above.get(path);
        return above ? [...this.way(above.path), path] : [path];
    }

    /// @param watcher called after the member, or one below it, was set: (member, whether another browser did)
    watch(path, watcher) {
        this.#watchers.set(path, [...(this.#watchers.get(path) ?? []), watcher]);
    }

    /// Takes over what the camera holds now. Whoever watches several of the values is called once.
    apply(values, isOther) {
        const watchers = new Map();
        for (const { path, value } of values) {
            const member = this.#byPath.get(path);
            if (member === undefined) {
                continue;
            }
            member.value = value;
            member.differs = !isSameValue(member.value, member.start);
            for (const held of this.way(path)) {
                for (const watcher of this.#watchers.get(held) ?? []) {
                    watchers.set(watcher, member);
                }
            }
        }
        for (const [watcher, member] of watchers) {
            watcher(member, isOther);
        }
    }
}
