.pragma library

// Squarified: rows of boxes along the shorter side, each row closed when one more box would make its worst side ratio
// worse. `sizes` are positive, best in descending order; the result holds a box {x, y, width, height} for each.
function boxes(sizes, width, height) {
    const result = [];
    const total = sizes.reduce((sum, size) => sum + size, 0);
    if (total <= 0 || width <= 0 || height <= 0)
        return result;
    const areas = sizes.map(size => size / total * width * height);
    const rest = {x: 0, y: 0, width: width, height: height};
    let start = 0;
    while (start < areas.length) {
        const side = Math.min(rest.width, rest.height);
        let end = start + 1;
        let sum = areas[start];
        let largest = sum;
        let smallest = sum;
        let worst = worstRatio(largest, smallest, sum, side);
        while (end < areas.length) {
            const next = worstRatio(Math.max(largest, areas[end]), Math.min(smallest, areas[end]), sum + areas[end], side);
            if (next > worst)
                break;
            worst = next;
            largest = Math.max(largest, areas[end]);
            smallest = Math.min(smallest, areas[end]);
            sum += areas[end++];
        }
        placeRow(result, areas, start, end, sum, rest);
        start = end;
    }
    return result;
}

function worstRatio(largest, smallest, sum, side) {
    return Math.max(side * side * largest / (sum * sum), sum * sum / (side * side * smallest));
}

function placeRow(result, areas, start, end, sum, rest) {
    const isColumn = rest.width >= rest.height;
    const depth = sum / (isColumn ? rest.height : rest.width);
    let along = isColumn ? rest.y : rest.x;
    for (let i = start; i < end; ++i) {
        const length = areas[i] / depth;
        result.push(isColumn ? {x: rest.x, y: along, width: depth, height: length}
                             : {x: along, y: rest.y, width: length, height: depth});
        along += length;
    }
    if (isColumn) {
        rest.x += depth;
        rest.width -= depth;
    } else {
        rest.y += depth;
        rest.height -= depth;
    }
}
